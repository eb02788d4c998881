# vch_runnable(<variable> <target>): a path by which other processes, such as tests and shells, can run a program.
#
# That is the program itself or, where it is another processor's, a script that runs it in the emulator under the same
# process id. The program takes the script for its own path, so that it can start itself anew.
function(vch_runnable variable target)
  set(${variable} $<TARGET_FILE:${target}> PARENT_SCOPE)
  if(CMAKE_CROSSCOMPILING_EMULATOR)
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
    set(script ${CMAKE_BINARY_DIR}/emulated/${target})
    file(GENERATE OUTPUT ${script} CONTENT "#!/bin/sh\nexec ${emulator} -0 \"$0\" '$<TARGET_FILE:${target}>' \"$@\"\n"
         FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    set(${variable} ${script} PARENT_SCOPE)
  endif()
endfunction()
