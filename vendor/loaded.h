// Whether any instance of the binding has the vendor library loaded, so that what its static members hold may be
// called.
#pragma once

bool GobiLibraryIsLoaded();
