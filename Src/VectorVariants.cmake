# The instruction levels of this processor, from the table that the program's own dispatch reads; none where it has no
# rows.
#   VECTOR_LEVELS         their names
#   VECTOR_BYTES_LEVEL    the width of a level's registers
#   VECTOR_OPTIONS_LEVEL  the compiler's options for it
set(table ${PROJECT_SOURCE_DIR}/Host/Interface/Core/VectorLevels.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${table})
file(READ ${table} rows)
string(TOUPPER ${LINEUP_PROCESSOR} processor)
string(REGEX MATCH "#define VECTOR_LEVELS_${processor}\\(LEVEL\\)[^#]*" rows "${rows}")
string(REGEX MATCHALL " LEVEL\\([^)]+\\)" rows "${rows}")
set(levels)
foreach(row IN LISTS rows)
    if(NOT row MATCHES "LEVEL\\(([a-z0-9]+), [A-Za-z0-9]+, ([0-9]+), \"([a-z0-9.]*)\", \"([a-z0-9.]*)\"\\)")
        message(FATAL_ERROR "${table}: not a row of the table: ${row}")
    endif()
    list(APPEND levels ${CMAKE_MATCH_1})
    set(VECTOR_BYTES_${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
    set(VECTOR_OPTIONS_${CMAKE_MATCH_1} ${CMAKE_MATCH_3} ${CMAKE_MATCH_4})
    list(TRANSFORM VECTOR_OPTIONS_${CMAKE_MATCH_1} PREPEND -m)
endforeach()
if(NOT levels AND LINEUP_PROCESSOR MATCHES "^(x86_64|aarch64)$")
    message(FATAL_ERROR "${table} has no rows for ${LINEUP_PROCESSOR}")
endif()
set(VECTOR_LEVELS ${levels} CACHE INTERNAL "The instruction levels of the vector code")

# vector_variants(PREFIX SOURCE)
# SOURCE compiled once for each instruction level, as the object libraries PREFIX_LEVEL, which become part of the plug-in;
# and as PREFIX_portable, for the tests, and for the plug-in where there is no level. The source is told
#   VECTOR_VARIANT  the level's name
#   VECTOR_BYTES    the width of its registers; not for the portable level
function(vector_variants prefix source)
    foreach(level IN LISTS VECTOR_LEVELS ITEMS portable)
        add_library(${prefix}_${level} OBJECT EXCLUDE_FROM_ALL ${source})
        target_compile_options(${prefix}_${level} PRIVATE ${VECTOR_OPTIONS_${level}})
        target_compile_definitions(${prefix}_${level} PRIVATE
            VECTOR_VARIANT=${level}
            $<$<BOOL:${VECTOR_BYTES_${level}}>:VECTOR_BYTES=${VECTOR_BYTES_${level}}>)
    endforeach()

    set(levels ${VECTOR_LEVELS})
    if(NOT levels)
        set(levels portable)
    endif()
    # An object library's objects are not among $<TARGET_OBJECTS:BarsAndTone>, so the module names them too.
    foreach(level IN LISTS levels)
        target_sources(BarsAndTone PRIVATE $<TARGET_OBJECTS:${prefix}_${level}>)
        target_sources(BarsAndToneModule PRIVATE $<TARGET_OBJECTS:${prefix}_${level}>)
    endforeach()
endfunction()
