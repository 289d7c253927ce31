// Uses the installed string helpers alone; exits with 0 when the answer is right.

#include <xstr/xstr.h>

int main() { return qeo::xstr::trim(" ni3 ", " ", true) == "ni3" ? 0 : 1; }
