// The price of a process: what every program of this kind pays before it does anything.
int main() {}
