# Quorvale.exe: the entry point and the resources. The pictures are drawn in resources/art/*.svg and
# rendered here, each into a bitmap resource of its file's name.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(art_folder ${CMAKE_CURRENT_BINARY_DIR}/art)
file(GLOB art_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/art/*.svg)
add_custom_command(
  OUTPUT ${art_folder}/art.rc
  COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/tools/render_art.py
          --renderer ${RSVG_CONVERT} --out ${art_folder}
          --icon ${CMAKE_SOURCE_DIR}/resources/icon.svg ${art_sources}
  DEPENDS ${art_sources} ${CMAKE_SOURCE_DIR}/resources/icon.svg
          ${CMAKE_SOURCE_DIR}/tools/render_art.py
  COMMENT "Rendering the pictures"
  VERBATIM)
configure_file(${CMAKE_SOURCE_DIR}/resources/quorvale.rc.in
               ${CMAKE_CURRENT_BINARY_DIR}/quorvale.rc @ONLY)
set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/quorvale.rc PROPERTIES
                            OBJECT_DEPENDS ${art_folder}/art.rc)

add_executable(Quorvale WIN32 desktop/windows_main.cpp ${CMAKE_CURRENT_BINARY_DIR}/quorvale.rc
                              ${art_folder}/art.rc)
set_source_files_properties(${art_folder}/art.rc PROPERTIES HEADER_FILE_ONLY ON)
target_include_directories(Quorvale PRIVATE ${CMAKE_SOURCE_DIR}/resources ${art_folder})
target_link_libraries(Quorvale PRIVATE quorvale_main quorvale_windows)
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  target_link_options(Quorvale PRIVATE -s)
endif()

include(${CMAKE_SOURCE_DIR}/cmake/windows_package.cmake)
