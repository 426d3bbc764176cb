#include "zenlay/media/media_services.h"

#include "zenlay/effects/service_hooks.h"
#include "zenlay/media/figures.h"
#include "zenlay/media/image_loading.h"
#include "zenlay/media/media_handles.h"

namespace zenlay {

void installMediaServices() {
  serviceHooks.loadImage = loadImage;
  serviceHooks.imageFileFilter = imageFileFilter;
  serviceHooks.drawFigure = drawFigure;
  serviceHooks.openMedia = openMedia;
  serviceHooks.openMediaByPath = openMediaByPath;
  serviceHooks.releaseMedia = releaseMedia;
}

}  // namespace zenlay
