#include "kvdicons.h"

#include "icons/kvd_clear.xpm"
#include "icons/kvd_float.xpm"
#include "icons/kvd_hide.xpm"
#include "icons/kvdmini.xpm"

const char* const* const kvdmini_xpm_data = kvdmini_xpm;
const char* const* const kvd_clear_xpm_data = kvd_clear_xpm;
const char* const* const kvd_hide_xpm_data = kvd_hide_xpm;
const char* const* const kvd_float_xpm_data = kvd_float_xpm;
