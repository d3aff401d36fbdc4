/* A stranger's first program: it must find the header, link the library and run with it. */
#include <stdio.h>
#include <string.h>
#include <zetac.h>

int main(void) {
    const ZetLibraryVersion* version = zetacGetLibVersion();
    Zet8u* block = zetsMalloc_8u(64);
    if (block == NULL) return 1;
    memset(block, 0, 64);
    zetsFree(block);
    printf("%s %s\n", version->Name, version->Version);
    return strcmp(version->Version, "5.2") != 0;
}
