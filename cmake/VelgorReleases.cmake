# The releases of the changelog as the metainfo lists them: version, date and the sentences that stand below a heading
# like "## 1.2.0 (2027-01-31)", before the first "-". What is not released yet has the date of its build.
function(velgor_read_releases changelog result)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changelog}")
    file(READ "${changelog}" text)
    string(REGEX REPLACE "\n(- |  )[^\n]*" "" text "${text}")
    string(REPLACE "&" "&amp;" text "${text}")
    string(REPLACE "<" "&lt;" text "${text}")
    string(REPLACE ">" "&gt;" text "${text}")

    if(NOT text MATCHES "\n## ${PROJECT_VERSION} ")
        string(TIMESTAMP today "%Y-%m-%d" UTC)
        string(REPLACE "\n## Unreleased\n" "\n## ${PROJECT_VERSION} (${today}) development\n" text "${text}")
    endif()
    string(REGEX REPLACE "\n## Unreleased\n[^#]*" "\n" text "${text}")
    string(REGEX REPLACE "^# [^\n]*\n+" "" text "${text}")
    string(REGEX REPLACE "## ([0-9.]+) \\(([0-9-]+)\\) ?([a-z]*)\n+([^#]*)"
        "    <release version=\"\\1\" date=\"\\2\" type=\"\\3\">\n      <description><p>\\4</p></description>\n    </release>\n"
        text "${text}")
    string(REGEX REPLACE "\n+</p>" "</p>" text "${text}")
    string(REPLACE " type=\"\"" "" text "${text}")
    string(REPLACE "      <description><p></p></description>\n" "" text "${text}")
    set(${result} "${text}" PARENT_SCOPE)
endfunction()
