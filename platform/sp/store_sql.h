/// The SQL files of this folder as texts; the build generates their definitions.
#pragma once

namespace sp {

extern const char *const schema_sql;      ///< the tables
extern const char *const sample_sql;      ///< the rows of the sample server
extern const char *const sample_logs_sql; ///< those of its logs

} // namespace sp
