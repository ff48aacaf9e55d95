# The hardening Debian builds its packages with: fortified library calls, stack protection, and
# relocations read-only and resolved at start (relro, bindnow). On by default, so that the
# package cpack makes from an ordinary build is hardened; the sanitizer and fuzz builds leave it.
option(TAVRELLE_HARDENING "Build with Debian's hardening flags" ON)
if(TAVRELLE_HARDENING AND NOT TAVRELLE_SANITIZE AND NOT TAVRELLE_FUZZ)
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong)
    add_link_options(-Wl,-z,relro -Wl,-z,now)
endif()
