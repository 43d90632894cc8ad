# What the charts have in common. draw.sh gives the data as $data, its first row with the titles.
set terminal svg size 760,360 font "sans-serif,13" background rgb "white"
set decimalsign "."
set datafile separator "\t"
set border 3
set tics nomirror
set grid ytics lc rgb "#dddddd"
set yrange [0:*]
set key top left reverse Left
set style line 1 lc rgb "#1f5fa8" lw 2 pt 7
set style line 2 lc rgb "#d9822b" lw 2 pt 5
set style line 3 lc rgb "#7a7a7a" lw 2 pt 9
set style line 4 lc rgb "#4c9a5f" lw 2 pt 11
