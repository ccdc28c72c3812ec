#include "Registration.h"

#include "frmowner.h"

void RegisterAllScreens() {
    RegisterShellScreens();
}
