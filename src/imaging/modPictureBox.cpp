#include "imaging/modPictureBox.h"

#include <memory>

namespace tessaloom::modPictureBox {

namespace {

enum class State { Fresh, Open, Closed };

struct Pool {
    State state = State::Fresh;
    std::vector<std::unique_ptr<PictureBox>> slots;  ///< Slot n is entry n - 1.
};

Pool& ThePool() {
    static Pool pool;
    return pool;
}

}  // namespace

void InitializePictureBox() {
    DestroyAllPictureBoxes();
    ThePool().state = State::Open;
}

int CreatePictureBox() {
    Pool& pool = ThePool();
    if (pool.state == State::Closed) return 0;
    std::size_t slot = 0;
    while (slot < pool.slots.size() && pool.slots[slot]) ++slot;
    if (slot == PoolSize) return 0;
    if (slot == pool.slots.size()) pool.slots.emplace_back();
    pool.slots[slot] = std::make_unique<PictureBox>();
    return static_cast<int>(slot) + 1;
}

PictureBox* GetPictureBox(int index) {
    const Pool& pool = ThePool();
    if (index < 1 || static_cast<std::size_t>(index) > pool.slots.size()) return nullptr;
    return pool.slots[static_cast<std::size_t>(index) - 1].get();
}

void DestroyPictureBox(int index) {
    if (GetPictureBox(index)) ThePool().slots[static_cast<std::size_t>(index) - 1].reset();
}

void DestroyAllPictureBoxes() { ThePool().slots.clear(); }

void TerminatePictureBox() {
    DestroyAllPictureBoxes();
    ThePool().state = State::Closed;
}

}  // namespace tessaloom::modPictureBox
