// The two integer helpers.

#include <qoc/containers.h>

int32_t qxfIMin(int32_t a, int32_t b) { return a < b ? a : b; }
int32_t qxfIMax(int32_t a, int32_t b) { return a > b ? a : b; }
