# Installs the built library into a scratch prefix, then configures, builds and runs
# a small program that finds it with find_package(prefa CONFIG).
file(REMOVE_RECURSE ${WORK_DIR})
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE r OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT r EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()
run(${CMAKE_COMMAND} --install ${PREFA_BUILD_DIR} --prefix ${WORK_DIR}/prefix)
run(${CMAKE_COMMAND} -S ${CONSUMER_SOURCE_DIR} -B ${WORK_DIR}/build
    -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)
if(NOT last_output MATCHES "prefa [0-9]+\\.[0-9]+\\.[0-9]+ ok")
  message(FATAL_ERROR "unexpected output of the consumer: ${last_output}")
endif()
message(STATUS "${last_output}")
