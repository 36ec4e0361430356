#include "Engine/Camera.h"
#include "MathKit/Math.h"

// Reads a constant that lives in the shared library, through its export.
int main()
{
    return KesraMathKit::TKesraMath<double>::PI > 3.14 ? 0 : 1;
}
