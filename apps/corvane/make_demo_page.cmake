# Draws demonstration page NUMBER at build time: the before picture of the
# sample drawing, the after picture of the sample script run on it, and the
# page showing both with the script itself. Run with cmake -P and
#   -DCORVANE=program -DSOURCE=resources/demo/demoN (no extension) -DOUT=folder -DNUMBER=N
# A script that fails stops the build, so a page never shows a stale result.
set(stem "demo${NUMBER}")
file(MAKE_DIRECTORY "${OUT}")
# A settings file of the build's own: the user's is neither read nor counted.
set(ENV{CORVANE_SETTINGS} "${OUT}/build-settings.reg")
file(COPY_FILE "${SOURCE}.dxf" "${OUT}/${stem}.dxf")
file(COPY_FILE "${SOURCE}.scr" "${OUT}/${stem}.scr")

function(run_corvane picture)
  execute_process(COMMAND "${CORVANE}" "${OUT}/${stem}.dxf" ${ARGN} --no-pages --png "${OUT}/${picture}"
                  RESULT_VARIABLE result OUTPUT_VARIABLE transcript ERROR_VARIABLE error)
  if(NOT result EQUAL 0 OR NOT EXISTS "${OUT}/${picture}")
    message(FATAL_ERROR "demonstration page ${NUMBER}: ${error}\n${transcript}")
  endif()
endfunction()
run_corvane("${stem}-before.png" -c "ZOOM E")
run_corvane("${stem}-after.png" -s "${OUT}/${stem}.scr")

# The title is the script's first comment line.
file(READ "${SOURCE}.scr" script)
string(REGEX MATCH "^;[ ]*([^\n]*)" _ "${script}")
set(title "${CMAKE_MATCH_1}")
foreach(text script title)
  string(REPLACE "&" "&amp;" ${text} "${${text}}")
  string(REPLACE "<" "&lt;" ${text} "${${text}}")
  string(REPLACE ">" "&gt;" ${text} "${${text}}")
endforeach()

file(WRITE "${OUT}/${stem}.html" "<!DOCTYPE html>
<html lang=\"en\">
<head>
<meta charset=\"utf-8\">
<title>Corvane demonstration ${NUMBER}: ${title}</title>
<style>
body { font-family: sans-serif; margin: 2em; max-width: 75em; }
figure { display: inline-block; margin: 0 1.5em 1.5em 0; }
img { width: 34em; border: 1px solid #bbb; }
pre { background: #f3f3f3; padding: 1em; }
</style>
</head>
<body>
<h1>${title}</h1>
<p>Corvane demonstration ${NUMBER} / 演示 ${NUMBER}. Curves the commands add are drawn in red.
命令新增的曲线以红色绘制。</p>
<figure><img src=\"${stem}-before.png\" alt=\"The drawing before the script\"><figcaption>Before / 运行前</figcaption></figure>
<figure><img src=\"${stem}-after.png\" alt=\"The drawing after the script\"><figcaption>After the script / 运行脚本后</figcaption></figure>
<h2>Script / 脚本</h2>
<pre>${script}</pre>
<p>Run it yourself / 自行运行: <code>corvane ${stem}.dxf -s ${stem}.scr --png after.png</code></p>
</body>
</html>
")
