# Which packages of Debian the files of a list belong to. Needs DPKG_QUERY.

# korvane_linked_packages(<variable> <list file> <use>): the packages behind all files of one use, linked names and what these
# lead to. Folders above a file's last are left open: the system's merged /usr gives one file several paths, of which dpkg knows
# one.
function(korvane_linked_packages variable list use)
    file(STRINGS "${list}" lines REGEX "^${use}[|]")
    set(patterns "")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^[^|]*[|]" "" file "${line}")
        file(REAL_PATH "${file}" real)
        foreach(path IN LISTS file real)
            string(REGEX MATCH "/[^/]+/[^/]+$" end "${path}")
            list(APPEND patterns "*${end}")
        endforeach()
    endforeach()
    set(found "")
    if(patterns)
        execute_process(COMMAND "${DPKG_QUERY}" --search ${patterns} OUTPUT_VARIABLE found ERROR_QUIET)
    endif()
    string(REGEX MATCHALL "(^|\n)[a-z0-9][a-z0-9.+-]*[:,]" packages "${found}")
    list(TRANSFORM packages REPLACE "[\n:,]" "")
    list(REMOVE_DUPLICATES packages)
    set(${variable} "${packages}" PARENT_SCOPE)
endfunction()
