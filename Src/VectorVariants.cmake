# vector_variants(PREFIX SOURCE)
# SOURCE compiled once for each instruction level, as the object libraries PREFIX_LEVEL. Those of this
# processor become part of the plug-in; PREFIX_portable is there for the tests too. The source is told
#   VECTOR_VARIANT  the level's name
#   VECTOR_BYTES    the width of its registers; not for the portable level
function(vector_variants prefix source)
    # The flags are what the host's detection tests for before it names the level
    # (Host/Services/Core/VectorRuntime.cpp): the two change together.
    set(bytes_n8 16)
    set(options_n8 -msse2)
    set(bytes_y8 16)
    set(options_y8 -mssse3 -msse4.1)
    set(bytes_e9 32)
    set(options_e9 -mavx)
    set(bytes_l9 32)
    set(options_l9 -mavx2)
    set(bytes_k0 64)
    set(options_k0 -mavx512f)

    foreach(level IN ITEMS n8 y8 e9 l9 k0 portable)
        add_library(${prefix}_${level} OBJECT EXCLUDE_FROM_ALL ${source})
        target_compile_options(${prefix}_${level} PRIVATE ${options_${level}})
        target_compile_definitions(${prefix}_${level} PRIVATE
            VECTOR_VARIANT=${level}
            $<$<BOOL:${bytes_${level}}>:VECTOR_BYTES=${bytes_${level}}>)
    endforeach()

    set(processor ${CMAKE_SYSTEM_PROCESSOR})
    if(CMAKE_OSX_ARCHITECTURES)  # a Mac builds for another processor too
        set(processor ${CMAKE_OSX_ARCHITECTURES})
    endif()
    if(processor MATCHES "^(x86_64|AMD64)$")
        set(levels n8 y8 e9 l9 k0)
    else()
        set(levels portable)
    endif()
    # An object library's objects are not among $<TARGET_OBJECTS:BarsAndTone>, so the module names them too.
    foreach(level IN LISTS levels)
        target_sources(BarsAndTone PRIVATE $<TARGET_OBJECTS:${prefix}_${level}>)
        target_sources(BarsAndToneModule PRIVATE $<TARGET_OBJECTS:${prefix}_${level}>)
    endforeach()
endfunction()
