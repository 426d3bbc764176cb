#include "zenlay/render/work_memory.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "zenlay/model/objects.h"

namespace zenlay {

namespace {

struct Block {
  ObjectRef owner;
  size_t size;
  void* memory;
};

constinit std::vector<Block> blocks;  // sorted by owner

}  // namespace

void* workMemory(ObjectRef ref, size_t size, bool* created) {
  *created = false;
  int object = objectOfRef(ref);
  if (object < 0 || object >= objectCapacity || size == 0) return nullptr;
  ObjectRef owner = makeObjectRef(headOf(object), slotOfRef(ref));
  auto at = std::lower_bound(blocks.begin(), blocks.end(), owner,
                             [](const Block& block, ObjectRef owner) { return block.owner < owner; });
  if (at == blocks.end() || at->owner != owner) at = blocks.insert(at, {owner, 0, nullptr});
  if (at->size == size) return at->memory;
  free(at->memory);
  at->memory = calloc(1, size);
  at->size = at->memory ? size : 0;
  *created = at->memory != nullptr;
  return at->memory;
}

void freeWorkMemoryOf(int object) {
  std::erase_if(blocks, [object](const Block& block) {
    if (objectOfRef(block.owner) != object) return false;
    free(block.memory);
    return true;
  });
}

void freeWorkMemory() {
  for (Block& block : blocks) free(block.memory);
  blocks = {};
}

}  // namespace zenlay
