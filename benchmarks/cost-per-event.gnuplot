# gnuplot -e "costs='FILE'; picture='FILE'": the cost of an event against the number of events.
set terminal pngcairo size 900,540 font "sans,11" background "#ffffff"
set output picture
set logscale xy
set xlabel "events in the day file"
set ylabel "microseconds of the processor for one event"
set format x "10^{%T}"
set grid xtics ytics linecolor "#dddddd"
set key outside right center
set xrange [700:1500000]
set yrange [0.1:*]
set style line 1 linewidth 3 pointtype 7 linecolor "#1b6ca8"
set style line 2 linewidth 2 pointtype 5 linecolor "#c44536"
set style line 3 linewidth 2 pointtype 9 linecolor "#d9a441"
set style line 4 linewidth 2 pointtype 13 linecolor "#777777" dashtype 2
plot costs using 1:2 with linespoints linestyle 1 title "this project", \
     costs using 1:3 with linespoints linestyle 2 title "libxml2's writer", \
     costs using 1:4 with linespoints linestyle 3 title "pugixml's tree", \
     costs using 1:5 with linespoints linestyle 4 title "the limit"
