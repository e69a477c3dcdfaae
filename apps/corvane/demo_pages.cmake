# The demonstration pages go to demo/ beside the program, in the plug-in folder
# where the demonstration commands look for them; they are drawn by the
# program itself from the sample drawings and scripts of resources/demo.
set(CORVANE_DEMO_OUT ${CMAKE_CURRENT_BINARY_DIR}/demo)
set(CORVANE_DEMO_PAGES)
foreach(n RANGE 1 11)
  set(source ${PROJECT_SOURCE_DIR}/resources/demo/demo${n})
  add_custom_command(OUTPUT ${CORVANE_DEMO_OUT}/demo${n}.html
    COMMAND ${CMAKE_COMMAND} -DCORVANE=$<TARGET_FILE:corvane> -DSOURCE=${source} -DOUT=${CORVANE_DEMO_OUT}
            -DNUMBER=${n} -P ${CMAKE_CURRENT_SOURCE_DIR}/make_demo_page.cmake
    DEPENDS corvane ${source}.dxf ${source}.scr ${CMAKE_CURRENT_SOURCE_DIR}/make_demo_page.cmake
    COMMENT "Drawing demonstration page ${n}"
    VERBATIM)
  list(APPEND CORVANE_DEMO_PAGES ${CORVANE_DEMO_OUT}/demo${n}.html)
endforeach()
add_custom_target(corvane_demo_pages ALL DEPENDS ${CORVANE_DEMO_PAGES})
