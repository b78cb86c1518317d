#include <yxbase/YxGeTol.h>

constinit YxGeTol YxGeContext::gTol;
