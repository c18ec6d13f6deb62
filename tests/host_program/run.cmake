# cmake -DBUILD=<build folder> -DSOURCE=<this folder> -DSAMPLE=<xyz file> -DROWS=<its rows> -DWORK=<scratch>
#       -DWITH_WINDOWS=<whether the Qt toolkit is there> -P run.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()
file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/host -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/prefix
    -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_FLAGS=${FLAGS} -DWITH_WINDOWS=${WITH_WINDOWS})
run(${CMAKE_COMMAND} --build ${WORK}/host)
run(${WORK}/host/host_program ${SAMPLE} ${WORK}/host.nvt ${ROWS})
run(${WORK}/host/library_page ${SAMPLE} ${WORK}/page.nvt ${WORK}/page.xyz)
if(NOT output MATCHES "\n${ROWS} locations written\n")
  message(FATAL_ERROR "the program of docs/library.md said:\n${output}")
endif()
if(WITH_WINDOWS)
  run(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=${WORK}
      ${WORK}/host/host_windows ${SAMPLE} ${WORK}/windows.nvt)
endif()
