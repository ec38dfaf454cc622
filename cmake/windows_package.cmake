# What is installed beside Quorvale.exe, and the setup program. The help file and the sound are made
# beside the program, so that it finds them when it is run from the build folder; the target
# "setup_program" packs it all.
find_program(CHMCMD chmcmd REQUIRED)
find_program(MAKENSIS makensis REQUIRED)
find_program(IMAGE_CONVERT convert REQUIRED)

file(GLOB help_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/help/*)
add_custom_command(
  OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/Quorvale.chm
  COMMAND ${CMAKE_SOURCE_DIR}/tools/build_help.sh ${CMAKE_SOURCE_DIR}/resources/help
          ${CMAKE_CURRENT_BINARY_DIR}/Quorvale.chm
  DEPENDS ${help_sources} ${CMAKE_SOURCE_DIR}/tools/build_help.sh
  COMMENT "Compiling the help file"
  VERBATIM)
add_custom_command(
  OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/chimes.wav
  COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/resources/make_chimes.py
          ${CMAKE_CURRENT_BINARY_DIR}/chimes.wav
  DEPENDS ${CMAKE_SOURCE_DIR}/resources/make_chimes.py
  COMMENT "Making the chimes"
  VERBATIM)
add_custom_target(program_companions ALL DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/Quorvale.chm
                                                 ${CMAKE_CURRENT_BINARY_DIR}/chimes.wav)
add_dependencies(Quorvale program_companions)

# The pictures of the setup program, in the only form that its compiler takes.
set(setup_pictures)
foreach(picture setup_side setup_header)
  add_custom_command(
    OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${picture}.bmp
    COMMAND ${RSVG_CONVERT} --format=png --output=${picture}.png
            ${CMAKE_SOURCE_DIR}/packaging/${picture}.svg
    COMMAND ${IMAGE_CONVERT} ${picture}.png -background white -flatten -type TrueColor
            BMP3:${picture}.bmp
    DEPENDS ${CMAKE_SOURCE_DIR}/packaging/${picture}.svg
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    VERBATIM)
  list(APPEND setup_pictures ${CMAKE_CURRENT_BINARY_DIR}/${picture}.bmp)
endforeach()

# The name by which the setup program sees that Quorvale is running; it stands in the program.
file(STRINGS ${CMAKE_SOURCE_DIR}/src/core/main/run_modes.h mutex_line REGEX "kInstanceMutex\\[\\] =")
string(REGEX MATCH "\"(.*)\"" mutex_text "${mutex_line}")
set(instance_mutex "${CMAKE_MATCH_1}")
if(NOT instance_mutex)
  message(FATAL_ERROR "The name of the program's mutex was not found")
endif()

set(setup_program ${CMAKE_BINARY_DIR}/package/quorvale-${PROJECT_VERSION}-setup.exe)
add_custom_command(
  OUTPUT ${setup_program}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/package
  COMMAND ${MAKENSIS} -V2 -WX -DVERSION=${PROJECT_VERSION} -DOUT_FILE=${setup_program}
          -DPROGRAM=$<TARGET_FILE:Quorvale> -DFILES=${CMAKE_CURRENT_BINARY_DIR}
          -DICON=${art_folder}/quorvale.ico -DINSTANCE_MUTEX=${instance_mutex}
          ${CMAKE_SOURCE_DIR}/packaging/quorvale.nsi
  DEPENDS Quorvale program_companions ${setup_pictures} ${CMAKE_CURRENT_BINARY_DIR}/Quorvale.chm
          ${CMAKE_CURRENT_BINARY_DIR}/chimes.wav ${CMAKE_SOURCE_DIR}/packaging/quorvale.nsi
  COMMENT "Packing the setup program"
  VERBATIM)
add_custom_target(setup_program DEPENDS ${setup_program})
