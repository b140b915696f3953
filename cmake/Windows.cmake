# What a program for Windows has in itself: icon, manifest, version.

set(SYSADMIN_WINDOWS_ICON "" CACHE FILEPATH "The programs' icon as an .ico file; packaging/windows/build makes it")
enable_language(RC)
# This system's rcc would pack resources in a way that the other's Qt is built without.
set(SYSADMIN_RCC_OPTIONS --no-zstd)

# sysadmin_windows_resources(TARGET DESCRIPTION)
function(sysadmin_windows_resources target description)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
endfunction()
