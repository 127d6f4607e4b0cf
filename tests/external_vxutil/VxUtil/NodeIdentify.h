#include <VxUtil/Identity.h>
