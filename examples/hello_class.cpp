#include <stdio.h>
#include <talvek/gobi_dll.h>

int main()
{
    static COrvGobiDll gobi;
    if (!gobi.Initialize()) return 1;
    ULONG status = gobi.Connect();
    char manufacturer[64] = "";
    if (status == 0) status = gobi.GetManufacturer(sizeof manufacturer, manufacturer);
    printf("%s (vendor status %u)\n", manufacturer, status);
    gobi.Disconnect();
    return status != 0;
}
