#include "library_machine.h"
