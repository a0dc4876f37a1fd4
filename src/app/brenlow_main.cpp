#include <cstdio>
int main() { std::puts("2.26.4"); return 0; }
