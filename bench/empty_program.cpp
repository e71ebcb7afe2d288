// The start of a process that links what the program links, and does nothing.
int main()
{
    return 0;
}
