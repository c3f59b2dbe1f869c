/// Must be refused: a second include defines the class again.
struct MissingGuard {
    int number = 0;
};
