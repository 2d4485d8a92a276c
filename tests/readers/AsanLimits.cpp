// A sanitized child cannot be given a limit on its address space, which its shadow memory exceeds. This stops what
// damaged files ask for instead.
extern "C" const char* __asan_default_options() { return "max_allocation_size_mb=2048"; }
