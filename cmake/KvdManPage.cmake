# Writes the manual page of kvd from its own help, at build time: the overview from
# `kvd --help` and `kvd --version` through help2man, and a COMMANDS section that holds
# `kvd COMMAND --help` of every command the overview lists.
#   cmake -DKVD=path/to/kvd -DHELP2MAN=path/to/help2man -DOUTPUT=kvd.1 -P KvdManPage.cmake
foreach(var KVD HELP2MAN OUTPUT)
    if(NOT ${var})
        message(FATAL_ERROR "KvdManPage.cmake needs -D${var}=...")
    endif()
endforeach()

function(kvd_help out)
    execute_process(COMMAND ${KVD} ${ARGN} --help OUTPUT_VARIABLE text RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "kvd ${ARGN} --help failed (${status})")
    endif()
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

kvd_help(overview)
string(REGEX MATCHALL "\n  [a-z]+ " listed "${overview}")
if(NOT listed)
    message(FATAL_ERROR "kvd --help lists no command")
endif()

set(section "[COMMANDS]\n")
foreach(entry IN LISTS listed)
    string(STRIP "${entry}" command)
    kvd_help(help ${command})
    # Shown as written: roff takes a backslash as an escape and a leading dot or quote
    # as a request.
    string(REPLACE "\\" "\\e" help "${help}")
    string(REGEX REPLACE "\n([.'])" "\n\\\\&\\1" help "\n${help}")
    string(APPEND section ".SS \"kvd ${command}\"\n.nf${help}.fi\n")
endforeach()

get_filename_component(dir ${OUTPUT} DIRECTORY)
file(WRITE ${dir}/kvd-commands.h2m "${section}")
execute_process(
    COMMAND ${HELP2MAN} --no-info --section 1 --name "read, write and draw measure repositories"
            --include ${dir}/kvd-commands.h2m --output ${OUTPUT} ${KVD}
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "help2man failed (${status})")
endif()
