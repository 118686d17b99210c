// A library without the export that makes it an add-in.
extern "C" int probeSilent()
{
    return 0;
}
