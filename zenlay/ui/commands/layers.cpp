// Commands on the layer whose header was clicked.
#include <string>

#include "zenlay/host/environment.h"
#include "zenlay/model/arrange.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/scenes.h"
#include "zenlay/model/undo.h"
#include "zenlay/ui/commands/edit_step.h"
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/dialogs/dialogs.h"
#include "zenlay/ui/timeline/selection.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay::commands {
namespace {

int clicked() { return clickPosition.layer; }

int toggleShownLayer(const Call& call) {
  if (!call.fromHost) return toggleLayer(clicked(), layerHidden);
  return onTimeline(currentObject) ? toggleLayer(objects[currentObject].layer, layerHidden) : 0;
}

int linkLayer() {
  const int layer = clicked();
  return inOneStep([=] {
    recordUndo(layer | undoLayerTarget, undoLayer);
    toggleLayer(layer, layerCoordinateLink);
    if (layers[layer].flags & layerCoordinateLink) alignLinkedCoordinates(layer);
    return 1;
  });
}

int renameClicked() {
  const int layer = clicked(), scene = currentScene;
  const std::string before = layers[layer].name ? layers[layer].name : "";
  std::string name = before;
  if (!askLayerName(name) || scene != currentScene || name == before) return 0;
  return inOneStep([&] {
    recordUndo(layer | undoLayerTarget, undoLayer);
    return renameLayer(scene, layer, name);
  });
}

/// The clicked layer alone, or all of them when some are hidden already.
int showOtherLayers() {
  bool allShown = true;
  for (int layer = 0; layer < layersPerScene; layer++)
    allShown &= layer == clicked() || !(layers[layer].flags & layerHidden);
  for (int layer = 0; layer < layersPerScene; layer++) {
    if (layer == clicked()) continue;
    layers[layer].flags = allShown ? layers[layer].flags | layerHidden : layers[layer].flags & ~layerHidden;
  }
  if (allShown) layers[clicked()].flags &= ~layerHidden;
  return 1;
}

/// Objects have other layers afterwards.
int rearrange(void (*change)(int layer)) {
  return inOneStep([=] {
    change(clicked());
    dropUnselectable();
    return 1;
  });
}

constexpr Row rows[] = {
    {commandToggleLayer, toggleShownLayer, needsProject, showsTimeline},
    {commandLockLayer, [](const Call&) { return toggleLayer(clicked(), layerLocked); }, needsProject, showsTimeline},
    {commandInsertLayer, [](const Call&) { return rearrange(insertLayer); }, needsProject, showsBoth},
    {commandDeleteLayer, [](const Call&) { return rearrange(deleteLayer); }, needsProject, showsBoth},
    {commandRenameLayer, [](const Call&) { return renameClicked(); }, needsProject, showsTimeline},
    {commandLinkCoordinates, [](const Call&) { return linkLayer(); }, needsProject, showsBoth},
    {commandClipLayer, [](const Call&) { return toggleLayer(clicked(), layerClipAbove); }, needsProject, showsTimeline},
    {commandShowOtherLayers, [](const Call&) { return showOtherLayers(); }, needsProject, showsTimeline},
};

}  // namespace

const std::span<const Row> layerCommands = rows;

}  // namespace zenlay::commands
