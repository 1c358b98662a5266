# What follows from the version, which stands in the file VERSION.

# Before 1.0 every minor version may break what links to it, from then on every major one.
if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(LINEUP_SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
    set(LINEUP_COMPATIBILITY SameMinorVersion)
else()
    set(LINEUP_SOVERSION ${PROJECT_VERSION_MAJOR})
    set(LINEUP_COMPATIBILITY SameMajorVersion)
endif()

# git(VARIABLE ARGUMENTS...): what git prints; empty where this is no checkout.
function(git variable)
    execute_process(COMMAND git -C ${PROJECT_SOURCE_DIR} ${ARGN}
        OUTPUT_VARIABLE text OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()

# What is built of a later commit is of a later version, as dpkg counts them, and names the commit.
set(LINEUP_BUILD_VERSION ${PROJECT_VERSION})
git(named_by log -1 --format=%H -- VERSION)
git(commits_since rev-list --count ${named_by}..HEAD)
if(named_by AND commits_since)
    git(commit rev-parse --short=10 HEAD)
    string(APPEND LINEUP_BUILD_VERSION "+git${commits_since}.${commit}")
endif()

# The day on which this version got its number: when VERSION was changed last.
git(LINEUP_DATE_SECONDS log -1 --format=%ct -- VERSION)
if(NOT LINEUP_DATE_SECONDS)
    file(TIMESTAMP ${PROJECT_SOURCE_DIR}/VERSION LINEUP_DATE_SECONDS %s UTC)
endif()
set(outer_epoch "$ENV{SOURCE_DATE_EPOCH}")
set(ENV{SOURCE_DATE_EPOCH} ${LINEUP_DATE_SECONDS})
string(TIMESTAMP LINEUP_DATE %Y-%m-%d UTC)
string(TIMESTAMP LINEUP_LONG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
# Clang refuses a variable that is set to nothing.
if(outer_epoch STREQUAL "")
    unset(ENV{SOURCE_DATE_EPOCH})
else()
    set(ENV{SOURCE_DATE_EPOCH} ${outer_epoch})
endif()
