# What differs between a build for a controller and the build tree of a developer's machine.
#
# The defaults are those of the service processor's firmware. The presets set VCH_BUILD_TREE, so that
# everything runs from the build folder without being installed.
option(VCH_BUILD_TREE "Run from the build folder: libraries opened at run time are its own stand-ins" OFF)
option(VCH_TESTS "Build the tests" OFF)
option(VCH_BENCH "Build the measurements of bench/" OFF)
set(VCH_SANITIZE "" CACHE STRING "Sanitizers, as the compiler's -fsanitize takes them (address,undefined or thread)")

if(VCH_BUILD_TREE)
  set(VCH_LIBRARY_FOLDER ${CMAKE_BINARY_DIR}/lib)
  set(VCH_CLASS_HELPER_DEFAULT ${VCH_LIBRARY_FOLDER}/libClassHelper.so)
  set(VCH_MEDIA_SERVICE_DEFAULT ${VCH_LIBRARY_FOLDER}/libmediasvc.so)
  set(VCH_NOTIFY_FILE_DEFAULT ${CMAKE_BINARY_DIR}/notify)
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${VCH_LIBRARY_FOLDER})
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  file(TOUCH ${VCH_NOTIFY_FILE_DEFAULT})  # ftok needs a file that exists
  install(CODE [[message(FATAL_ERROR "This build runs from its own folder and would need it when installed. One that can \
be installed comes of: cmake -G Ninja -B build/install -DCMAKE_BUILD_TYPE=MinSizeRel")]])
elseif(NOT VCH_FIRMWARE_LIBRARIES)
  # An installed stand-in lies beside the class library, wherever that is.
  set(VCH_CLASS_HELPER_DEFAULT $ORIGIN/libClassHelper.so)
  set(VCH_MEDIA_SERVICE_DEFAULT $ORIGIN/libmediasvc.so)
  set(VCH_NOTIFY_FILE_DEFAULT /dev/null)  # ftok needs a file that exists
else()
  set(VCH_CLASS_HELPER_DEFAULT /usr/local/lib/libClassHelper.so)
  set(VCH_MEDIA_SERVICE_DEFAULT /usr/local/lib/libmediasvc.so)
  set(VCH_NOTIFY_FILE_DEFAULT /dev/mtd0)
endif()
set(VCH_CLASS_HELPER ${VCH_CLASS_HELPER_DEFAULT} CACHE STRING "Path by which the base helper library is opened")
set(VCH_MEDIA_SERVICE ${VCH_MEDIA_SERVICE_DEFAULT} CACHE STRING "Path by which the media service library is opened")
set(VCH_NOTIFY_FILE ${VCH_NOTIFY_FILE_DEFAULT} CACHE STRING "File whose ftok keys name the trace mask's message queues")
