# Runs a libFuzzer binary for a bounded time; the scratch corpus comes first because libFuzzer writes there.
file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})
execute_process(
  COMMAND ${FUZZER} -max_total_time=${SECONDS} -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
          -artifact_prefix=${SCRATCH}/ ${SCRATCH} ${SEEDS}
  RESULT_VARIABLE status
  OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "fuzzer found a failure (status ${status}):\n${out}")
endif()
string(REGEX MATCH "stat::number_of_executed_units: *[0-9]+" runs "${out}")
message(STATUS "fuzzer finished cleanly: ${runs}")
