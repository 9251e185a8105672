# Compiles what is shipped as Debian does, so that a bug is harder to exploit: libc calls that check
# sizes, guards on the stack, programs at random addresses, and tables that are read-only once a
# program is loaded. No figure depends on it; docs/performance.md says what it costs. Checked libc
# calls need optimised code, so builds of other types do without all of it.
include(CheckPIESupported)

# Called in the folders of what is shipped.
macro(gait_harden_folder)
  if(GAIT_HARDENING AND UNIX AND NOT APPLE)
    check_pie_supported()
    set(hardened "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
    add_compile_options(
      "$<${hardened}:-fstack-protector-strong;-Wformat;-Werror=format-security>"
      # Some compilers come with a level of their own, which may not be defined twice.
      "$<${hardened}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    add_link_options("$<${hardened}:LINKER:-z,relro,-z,now>")
  endif()
endmacro()
