# Writes OUTPUT, a C++ file with FOLDER's SQL files as texts.
file(WRITE ${OUTPUT} "#include \"store_sql.h\"\n")
foreach(name schema sample sample_logs)
  file(READ ${FOLDER}/${name}.sql text)
  file(APPEND ${OUTPUT} "\nconst char *const sp::${name}_sql = R\"sql(${text})sql\";\n")
endforeach()
