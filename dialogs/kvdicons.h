#ifndef KVDICONS_H
#define KVDICONS_H

// The viewer's own XPM images, for GETPIX.
extern const char* const* const kvdmini_xpm_data;   // 16x16, 8 colours: window icon
extern const char* const* const kvd_clear_xpm_data; // 16x16, 56 colours: "Clear"
extern const char* const* const kvd_hide_xpm_data;  // 16x16, 5 colours: "Hide Events"
extern const char* const* const kvd_float_xpm_data; // 16x16, 89 colours: "Floating Schedule"

#endif
