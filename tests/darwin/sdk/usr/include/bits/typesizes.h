#pragma once

// A Mac's types in the place of this machine's, so that what loses digits or fits two overloads there does so here.
// stat(2), types(5)

#include_next <bits/typesizes.h>

#undef __DEV_T_TYPE
#define __DEV_T_TYPE int
#undef __MODE_T_TYPE
#define __MODE_T_TYPE unsigned short int
#undef __INO_T_TYPE
#define __INO_T_TYPE unsigned long long int
#undef __OFF_T_TYPE
#define __OFF_T_TYPE long long int
#undef __BLKCNT_T_TYPE
#define __BLKCNT_T_TYPE long long int
#undef __SUSECONDS_T_TYPE
#define __SUSECONDS_T_TYPE int
