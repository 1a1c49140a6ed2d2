# How a release of the daemon is compiled, linked and installed: small, hardened, and debuggable through a file of its
# own. Only GCC's objects serve two ends: the daemon is optimised at its linking, the tests, which link the same
# objects, are linked as quickly as ever.

set(XAS_IS_SHIPPED OFF)
if(CMAKE_BUILD_TYPE STREQUAL Release AND NOT XAS_SANITIZE AND NOT XAS_COVERAGE)
    set(XAS_IS_SHIPPED ON)
endif()

add_library(xas_shipped INTERFACE) # what the daemon consists of is compiled so
add_library(xas_shipped_link INTERFACE)
add_library(xas_quick_link INTERFACE) # the tests and the tools are linked so
if(XAS_IS_SHIPPED)
    target_compile_options(xas_shipped INTERFACE
        -g1 -ffunction-sections -fdata-sections -fno-asynchronous-unwind-tables -fno-threadsafe-statics
        -fPIE -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    target_link_options(xas_shipped_link INTERFACE -pie LINKER:-z,relro,-z,now,--gc-sections,--as-needed)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        target_compile_options(xas_shipped INTERFACE -flto -ffat-lto-objects)
        target_link_options(xas_quick_link INTERFACE -fno-lto)
        target_link_options(xas_shipped_link INTERFACE -flto=auto)
    endif()
    if(XAS_STATIC_RUNTIME)
        target_link_options(xas_shipped_link INTERFACE -static-libstdc++ -static-libgcc)
    endif()
endif()

# Links a program as it is shipped, and installs it below DIRECTORY: what is shipped is stripped, and names the file
# below lib/debug, where debuggers look, that holds what was taken from it.
function(xas_ship program directory)
    target_link_libraries(${program} PRIVATE xas_shipped_link)
    if(XAS_IS_SHIPPED AND XAS_STATIC_RUNTIME)
        target_sources(${program} PRIVATE ${PROJECT_SOURCE_DIR}/src/terminate.cpp)
    endif()
    install(TARGETS ${program} RUNTIME DESTINATION ${directory} COMPONENT daemon)
    if(XAS_IS_SHIPPED)
        install(CODE "
            set(program \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${directory}/${program})
            set(debug \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/lib/debug\${CMAKE_INSTALL_PREFIX}/${directory})
            file(MAKE_DIRECTORY \${debug})
            execute_process(COMMAND ${CMAKE_OBJCOPY} --only-keep-debug \${program} \${debug}/${program}.debug
                            COMMAND_ERROR_IS_FATAL ANY)
            execute_process(COMMAND ${CMAKE_OBJCOPY} --strip-all --add-gnu-debuglink=\${debug}/${program}.debug \${program}
                            COMMAND_ERROR_IS_FATAL ANY)" COMPONENT daemon)
    endif()
endfunction()
