# Writes the source file FILE, which gives the commit COMMIT, or the one that SOURCE has in GIT.
cmake_minimum_required(VERSION 3.25)
if(NOT COMMIT AND GIT AND EXISTS "${SOURCE}/.git")
    # Without a lock that would hinder somebody who works there.
    execute_process(
        COMMAND "${GIT}" --no-optional-locks describe --always --abbrev=10 --exclude=* --dirty
        WORKING_DIRECTORY "${SOURCE}"
        OUTPUT_VARIABLE COMMIT OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
# Git writes it into the archives that it makes.
set(archived "${SOURCE}/cmake/archived-commit.txt")
if(NOT COMMIT AND EXISTS "${archived}")
    file(STRINGS "${archived}" line REGEX "^[0-9a-f]+$")
    string(SUBSTRING "${line}" 0 10 COMMIT)
endif()
string(REGEX REPLACE "[^A-Za-z0-9.+~-]" "" COMMIT "${COMMIT}")
file(CONFIGURE OUTPUT "${FILE}" @ONLY NEWLINE_STYLE UNIX CONTENT
"#include \"ProgramVersion.h\"

QString ProgramVersion::commit()
{
    return QStringLiteral(\"@COMMIT@\");
}
")
