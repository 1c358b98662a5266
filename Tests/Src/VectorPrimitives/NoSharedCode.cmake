# Fails when one of OBJECTS has a weak or unique symbol, which the linker may merge with another object's.
foreach(object IN LISTS OBJECTS)
    execute_process(COMMAND ${NM} --demangle ${object} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
    if(NOT symbols MATCHES "kKernels")
        message(FATAL_ERROR "${object} is not an object of the kernels:\n${symbols}")
    endif()
    # A pointer to the C++ runtime's exception handler, which a build with sanitizers has, is no code.
    string(REGEX REPLACE "[^\n]* V DW\\.ref\\.[^\n]*" "" symbols "${symbols}")
    if(symbols MATCHES "[^\n]* [VWu] [^\n]*")
        message(FATAL_ERROR "${object} offers code to other objects: ${CMAKE_MATCH_0}")
    endif()
endforeach()
