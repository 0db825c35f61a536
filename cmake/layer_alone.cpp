// The entry point of the per-layer link checks: the layer's objects are
// linked in whole, so nothing here has to reference them.
int main() { return 0; }
