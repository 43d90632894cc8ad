# Groups of bars: a group for each row, a bar for each column. A "|" parts the lines of a row's title.
# What is above `top` is cut off, and labelled in units of 1024.
load "tools/charts/style.gp"
set ylabel unit
set style data histogram
set style histogram clustered gap 1
set style fill solid
set boxwidth 0.92
set tics scale 0.5
set xtics scale 0
set bmargin 3
set key outside top center horizontal
cut(value) = value > top ? top : value
text(value) = value > top ? sprintf("%.1fM", value / 1024) : sprintf(value < 10 ? "%.1f" : "%.0f", value)
lines(title) = strstrt(title, "|") == 0 ? title : \
  title[1:strstrt(title, "|") - 1] . "\n" . title[strstrt(title, "|") + 1:*]
# The first row has the titles.
middle(bar) = (bar - 2 - (bars - 1) / 2.0) / (bars + 1)
set yrange [0:top * 1.1]
plot for [bar = 2:bars + 1] $data using (cut(column(bar))):xtic(lines(stringcolumn(1))) title columnheader(bar) ls bar - 1, \
     for [bar = 2:bars + 1] $data using ($0 - 1 + middle(bar)):(cut(column(bar))):(text(column(bar))) \
       with labels offset 0, 0.6 font ",9" notitle
