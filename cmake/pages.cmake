# Writes the manual pages and the completions that TOOL prints into FOLDER: man1/kalo.1 and one page
# for each command, kalo.bash, kalo.zsh and kalo.fish.
function(printed file)
    execute_process(COMMAND ${TOOL} ${ARGN} OUTPUT_FILE ${FOLDER}/${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER}/man1)
printed(man1/kalo.1 manual)
# The page of the program names the others.
file(STRINGS ${FOLDER}/man1/kalo.1 others REGEX "^\\.BR kalo")
foreach(other IN LISTS others)
    string(REGEX REPLACE "^\\.BR kalo[^a-z]*([a-z]+).*" "\\1" command "${other}")
    printed(man1/kalo-${command}.1 manual ${command})
endforeach()
foreach(shell bash zsh fish)
    printed(kalo.${shell} completion ${shell})
endforeach()
