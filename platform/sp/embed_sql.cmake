# Writes OUTPUT, a C++ file with FOLDER's schema.sql and sample.sql as texts.
file(WRITE ${OUTPUT} "#include \"store_sql.h\"\n")
foreach(name schema sample)
  file(READ ${FOLDER}/${name}.sql text)
  file(APPEND ${OUTPUT} "\nconst char *const sp::${name}_sql = R\"sql(${text})sql\";\n")
endforeach()
