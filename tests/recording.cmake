# The shipped recording and its expected output are what the generator and the tool make now.
# cmake -DVOYAGE=... -DTOOL=... -DFOLDER=... -DOUTPUT=... -P recording.cmake; script/update makes both anew.
function(expect file)
    set(made ${OUTPUT}/${file})
    execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${FOLDER} OUTPUT_FILE ${made}
        ERROR_VARIABLE messages COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${FOLDER}/${file} ${made}
        RESULT_VARIABLE different)
    if(different)
        message(FATAL_ERROR "${file} differs from ${made}")
    endif()
endfunction()

expect(voyage.log ${VOYAGE})
expect(voyage.jsonl ${TOOL} decode voyage.log)
