#include "zenlay/render/work_memory.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstdlib>
#include <vector>

#include "zenlay/model/objects.h"
#include "zenlay/render/audio_mix.h"

namespace zenlay {

namespace {

constexpr int maxPlayers = maxMixes - 1;

struct Owner {
  ObjectRef slot;  // of the chain's head
  std::array<ObjectRef, maxPlayers> players;
  auto operator<=>(const Owner&) const = default;
};

struct Block {
  Owner owner;
  size_t size;
  void* memory;
};

constinit std::vector<Block> blocks;                    // sorted by owner
constinit std::array<ObjectRef, maxPlayers> players{};  // 0 behind the last
constinit int playerCount = 0;

ObjectRef ownerSlot(ObjectRef ref) { return makeObjectRef(headOf(objectOfRef(ref)), slotOfRef(ref)); }

bool belongsTo(const Owner& owner, int object) {
  auto isOf = [object](ObjectRef ref) { return objectOfRef(ref) == object; };
  return isOf(owner.slot) || std::any_of(owner.players.begin(), owner.players.end(), isOf);
}

}  // namespace

void* workMemory(ObjectRef ref, size_t size, bool* created) {
  *created = false;
  int object = objectOfRef(ref);
  if (object < 0 || object >= objectCapacity || size == 0) return nullptr;
  Owner owner{ownerSlot(ref), players};
  auto at = std::lower_bound(blocks.begin(), blocks.end(), owner,
                             [](const Block& block, const Owner& owner) { return block.owner < owner; });
  if (at == blocks.end() || at->owner != owner) at = blocks.insert(at, {owner, 0, nullptr});
  if (at->size == size) return at->memory;
  free(at->memory);
  at->memory = calloc(1, size);
  at->size = at->memory ? size : 0;
  *created = at->memory != nullptr;
  return at->memory;
}

void enterPlayer(ObjectRef ref) { players[playerCount++] = ownerSlot(ref); }

void leavePlayer() { players[--playerCount] = 0; }

void freeWorkMemoryOf(int object) {
  std::erase_if(blocks, [object](const Block& block) {
    if (!belongsTo(block.owner, object)) return false;
    free(block.memory);
    return true;
  });
}

void freeWorkMemory() {
  for (Block& block : blocks) free(block.memory);
  blocks = {};
}

}  // namespace zenlay
