# Makes manual pages of a program and each of its commands from what their --help says: PAGES/NAME.1.gz and
# PAGES/NAME-COMMAND.1.gz. Variables: PROGRAM, VERSION, HELP2MAN, PAGES.

cmake_minimum_required(VERSION 3.25)
set(ENV{LC_ALL} C.UTF-8)
get_filename_component(program ${PROGRAM} NAME)

# page(NAME SUMMARY SEE_ALSO COMMAND...)
function(page name summary see_also)
    set(command ${ARGN})
    list(JOIN command " " shown)
    execute_process(
        COMMAND ${HELP2MAN} --no-info --version-string ${VERSION} --name ${summary} "${shown}"
        OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    string(TOUPPER ${name} title)
    string(REGEX REPLACE "\n\\.TH [^\n]*" "\n.TH ${title} 1 \"\" \"${program} ${VERSION}\" \"User Commands\"" text "${text}")
    string(REGEX REPLACE "\n\\.SH NAME\n[^\n]*" "\n.SH NAME\n${name} \\\\- ${summary}" text "${text}")
    # What help2man takes for paragraphs of their own: the second line of a long example, and of the synopsis.
    string(REPLACE " \\e\n.HP\n" " " text "${text}")
    string(REPLACE "\n.SH DESCRIPTION\n.IP\n${program} help [COMMAND]\n.PP\n"
        "\n.br\n.B ${program}\nhelp [\\fI\\,COMMAND\\/\\fR]\n.SH DESCRIPTION\n" text "${text}")
    # It makes a section of "Examples:", but not of these.
    if(text MATCHES "\n\\.SS \"Example:\"\n(\\.IP\n[^\n]+\n)")
        set(example "${CMAKE_MATCH_1}")
        string(REPLACE "\n.SS \"Example:\"\n${example}" "\n" text "${text}")
        string(APPEND text ".SH EXAMPLES\n${example}")
    endif()
    foreach(heading Arguments Commands "Exit status")
        string(TOUPPER ${heading} section)
        string(REPLACE "\n.SS \"${heading}:\"\n" "\n.SH \"${section}\"\n" text "${text}")
    endforeach()
    file(WRITE ${PAGES}/${name}.1 "${text}.SH \"SEE ALSO\"\n.BR ${see_also}\n")
    execute_process(COMMAND gzip -9 --no-name --force ${PAGES}/${name}.1 COMMAND_ERROR_IS_FATAL ANY)
endfunction()

execute_process(COMMAND ${PROGRAM} --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
if(NOT help MATCHES "\nCommands:\n(.*)\n\nOptions:")
    message(FATAL_ERROR "${program} --help names no commands")
endif()
string(REPLACE "\n" ";" commands "${CMAKE_MATCH_1}")

file(REMOVE_RECURSE ${PAGES})
foreach(line IN LISTS commands)
    if(line MATCHES "^ +([a-z]+) +(.+)$")
        list(APPEND names ${CMAKE_MATCH_1})
        page(${program}-${CMAKE_MATCH_1} "${CMAKE_MATCH_2}" "${program} (1)" ${PROGRAM} ${CMAKE_MATCH_1})
    endif()
endforeach()
list(TRANSFORM names REPLACE "(.+)" "${program}-\\1 (1)")
list(JOIN names ",\n.BR " see_also)
page(${program} "work on the files that surround a spectrum measurement" "${see_also}" ${PROGRAM})
