#include "stage.h"

#include "directfb_system.h"

namespace caption
{

static const Options &Prepare(const Options &options)
{
    ChooseDirectFBSystem(options);
    return options;
}

static const Options &Checked(const Options &options)
{
    Check(options);
    return options;
}

Stage::Stage(const Options &options)
    : fonts(Checked(options)), display(Prepare(options)), renderer(options, display, fonts)
{
}

} // namespace caption
