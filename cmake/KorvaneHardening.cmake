# What makes a fault in memory harder to use, as far as the compiler and the linker have it. Builds that are shipped have it;
# others change too often, and some of it needs an optimiser.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

add_library(korvane_hardening INTERFACE)
if(NOT KORVANE_HARDENING)
    return()
endif()
target_compile_options(korvane_hardening INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
# A flag that a machine has no use for is warned of.
set(CMAKE_REQUIRED_FLAGS -Werror)
foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
    string(MAKE_C_IDENTIFIER "KORVANE_HAS${flag}" is_known)
    check_cxx_compiler_flag(${flag} ${is_known})
    if(${is_known})
        target_compile_options(korvane_hardening INTERFACE ${flag})
    endif()
endforeach()
unset(CMAKE_REQUIRED_FLAGS)
foreach(flag IN ITEMS LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
    string(MAKE_C_IDENTIFIER "KORVANE_HAS_${flag}" is_known)
    check_linker_flag(CXX ${flag} ${is_known})
    if(${is_known})
        target_link_options(korvane_hardening INTERFACE ${flag})
    endif()
endforeach()
