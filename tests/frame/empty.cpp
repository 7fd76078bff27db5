// A resource library has no code; the linker wants a source file.
