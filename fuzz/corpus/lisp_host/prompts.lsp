(list (getpoint) (getdist) (getangle) (getint) (getstring t) (entsel) (ssget))
1,2
3<4
45d30'
7
text here
0,0
w
0,0
1,1

