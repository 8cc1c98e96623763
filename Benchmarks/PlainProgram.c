/* bench_plain OPERATION [TARGET]: one operation through Subversion alone, as a whole process. */

#include "PlainClient.h"

#include <stdio.h>

int main(int argc, char** argv)
{
    if (argc < 2) {
        fputs("usage: bench_plain OPERATION [TARGET]\n", stderr);
        return 2;
    }
    struct PlainClient* client = PlainClientOpen();
    if (!client) {
        return 1;
    }
    const long items = PlainClientRun(client, argv[1], argc > 2 ? argv[2] : ".");
    PlainClientClose(client);
    if (items < 0) {
        return 1;
    }
    printf("items %ld\n", items);
    return 0;
}
