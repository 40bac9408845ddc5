// The C library's headers of this machine ask for it where a pointer has 32 bits.
