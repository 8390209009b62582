# Settings every Kavendi target shares; applied per target, never directory-wide.
include(GNUInstallDirs)

# The installed programs find their libraries and data from their own directory, so that
# an installed tree works wherever it is unpacked (see cmake/KvdInstall.cmake).
file(RELATIVE_PATH KVD_LIBDIR_FROM_BINDIR ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH KVD_DATADIR_FROM_BINDIR ${CMAKE_INSTALL_FULL_BINDIR}
     ${CMAKE_INSTALL_FULL_DATADIR}/kavendi)
option(KVD_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

function(kvd_setup target)
    target_compile_features(${target} PRIVATE cxx_std_17)
    target_compile_options(${target} PRIVATE -Wall -Wextra)
    set_target_properties(${target} PROPERTIES AUTOMOC ON CXX_EXTENSIONS OFF)
    get_target_property(type ${target} TYPE)
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
    if(type STREQUAL "OBJECT_LIBRARY")
        set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    endif()
    if(KVD_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer
                                                 -fno-sanitize-recover=undefined)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
    # A fuzzing build instruments every target, so that fuzzers linking the libraries are
    # guided by the code they reach there too.
    if(KVD_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link,address
                                                 -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=address)
    endif()
endfunction()
