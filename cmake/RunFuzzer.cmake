# Runs one libFuzzer harness for SECONDS on a fresh copy of its seed corpus
# (the repository is never written) and prints one line of figures: runs,
# coverage, features and corpus size. cmake -P with FUZZER, SEEDS, WORK and
# SECONDS set. A finding fails the run and leaves its input in WORK.
foreach(required FUZZER SEEDS WORK SECONDS)
  if(NOT DEFINED ${required})
    message(FATAL_ERROR "RunFuzzer.cmake needs -D${required}=...")
  endif()
endforeach()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/corpus)
file(GLOB seeds ${SEEDS}/*)
if(seeds)
  file(COPY ${seeds} DESTINATION ${WORK}/corpus)
endif()

execute_process(
  COMMAND ${FUZZER} -max_total_time=${SECONDS} -timeout=10 -rss_limit_mb=2048
          -print_final_stats=1 -artifact_prefix=${WORK}/ ${WORK}/corpus
  WORKING_DIRECTORY ${WORK}
  RESULT_VARIABLE result
  OUTPUT_FILE ${WORK}/output.log
  ERROR_FILE ${WORK}/output.log)

file(READ ${WORK}/output.log log)
get_filename_component(name ${FUZZER} NAME)
string(REGEX MATCH "stat::number_of_executed_units: *([0-9]+)" _ "${log}")
set(runs ${CMAKE_MATCH_1})
string(REGEX MATCHALL "#[0-9]+[^\n]*cov: [0-9]+ ft: [0-9]+ corp: [0-9]+" progress "${log}")
list(POP_BACK progress last)
string(REGEX MATCH "cov: ([0-9]+) ft: ([0-9]+) corp: ([0-9]+)" _ "${last}")
message("${name}: ${runs} runs in ${SECONDS} s, cov ${CMAKE_MATCH_1}, ft ${CMAKE_MATCH_2}, corpus ${CMAKE_MATCH_3}")

if(NOT result EQUAL 0)
  string(LENGTH "${log}" length)
  math(EXPR from "${length} - 6000")
  if(from LESS 0)
    set(from 0)
  endif()
  string(SUBSTRING "${log}" ${from} -1 tail)
  message(FATAL_ERROR "${name} found a fault (exit ${result}); inputs in ${WORK}\n${tail}")
endif()
