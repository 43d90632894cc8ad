# Lines with points: the first column is the place, each other one a line.
load "tools/charts/style.gp"
set xlabel place
set ylabel unit
set xrange [0:*]
set yrange [0:*]
plot for [line = 2:lines + 1] $data using 1:line with linespoints ls line - 1 title columnheader(line)
