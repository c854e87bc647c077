# SPDX-License-Identifier: MIT

# Three Debian packages, as Debian divides libraries: a host needs the library without headers and
# without zef, and two majors of the library can be installed side by side.

if(NOT BUILD_SHARED_LIBS OR NOT TARGET zef)
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zef-filesystem-tools)
set(CPACK_PACKAGE_VENDOR "ZEFFilesystemTools developers")
set(CPACK_PACKAGE_CONTACT "ZEFFilesystemTools developers <developers@zef-filesystem-tools.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL runtime development program)
set(CPACK_COMPONENTS_GROUPING IGNORE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/ZEFFilesystemTools")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "${runtime_package}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_BINARY_DIR}/triggers")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "This is the shared library. Its file items stay attached to their files
while these are renamed or moved, and its subscriptions report what changes
in a folder.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME "${development_package}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "These are the C++20 headers, and what CMake and pkg-config need to find the
library.")

# Another package's program has the same name.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME "${program_package}")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${runtime_package} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS shared-mime-info)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_CONFLICTS raku-zef)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
  "This is the zef program: it shows people what happens to their files, finds
these again after they were moved, and serves programs in any language by
JSON-RPC.")

include(CPack)
