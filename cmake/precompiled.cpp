// Holds nothing: the target that compiles the shared headers needs one source.
