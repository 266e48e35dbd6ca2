// The label table: replacement, the 7-character identity, capacity, deletion
// that shifts, clearing that keeps names, and iteration by address.
#include <gtest/gtest.h>

#include <cstring>

#include "memfs/memfs.h"

namespace {

void *A(uintptr_t v) { return reinterpret_cast<void *>(v); }

class MemfsLabels : public testing::Test {
  protected:
    EntradaLabel t[MAXLABELS] = {};
};

TEST_F(MemfsLabels, NamesCountByTheirFirstSevenCharacters) {
    EXPECT_EQ(AniadirLabel(t, "datos", A(0x10)), 0);
    EXPECT_EQ(AniadirLabel(t, "datos", A(0x20)), 0);
    EXPECT_EQ(ObtenerAddr(t, "datos"), A(0x20));
    EXPECT_EQ(AniadirLabel(t, "memoria1", A(0x30)), 1);
    EXPECT_EQ(AniadirLabel(t, "memoria2", A(0x40)), 1);
    EXPECT_STREQ(t[1].nombre, "memoria");
    EXPECT_EQ(ObtenerAddr(t, "memoriaX"), A(0x40));
    EXPECT_EQ(ObtenerAddr(t, "memo"), nullptr);
    EXPECT_STREQ(ObtenerLabel(t, A(0x40)), "memoria");
    EXPECT_EQ(ObtenerLabel(t, A(0x50)), nullptr);
}

TEST_F(MemfsLabels, TheTableHoldsTwoThousandFortySevenLabels) {
    char nombre[8];
    for (int i = 0; i < MAXLABELS - 1; i++) {
        snprintf(nombre, sizeof nombre, "l%d", i);
        ASSERT_EQ(AniadirLabel(t, nombre, A(0x1000 + i)), i);
    }
    EXPECT_EQ(AniadirLabel(t, "otra", A(0x1)), -1);
    EXPECT_EQ(t[MAXLABELS - 1].direccion, nullptr);
    EXPECT_EQ(AniadirLabel(t, "l5", A(0x2)), 5);  // replacing still works when full
    EXPECT_EQ(BorrarLabel(t, "l0"), 0);
    EXPECT_EQ(AniadirLabel(t, "otra", A(0x1)), MAXLABELS - 2);
}

TEST_F(MemfsLabels, DeletionShiftsLaterLabelsDown) {
    AniadirLabel(t, "a", A(1));
    AniadirLabel(t, "b", A(2));
    AniadirLabel(t, "c", A(3));
    EXPECT_EQ(BorrarLabel(t, "b"), 1);
    EXPECT_STREQ(t[1].nombre, "c");
    EXPECT_EQ(t[1].direccion, A(3));
    EXPECT_EQ(t[2].direccion, nullptr);
    EXPECT_NE(BorrarLabel(t, "nolabel"), -1);  // nothing there counts as deleted
    EXPECT_NE(BorrarLabel(t, nullptr), -1);
    EXPECT_EQ(ObtenerAddr(t, "c"), A(3));
}

TEST_F(MemfsLabels, ClearingForgetsAddressesButKeepsNames) {
    AniadirLabel(t, "a", A(1));
    AniadirLabel(t, "b", A(2));
    InicializarListaLabel(t);
    EXPECT_EQ(ObtenerPrimeraDireccion(t), nullptr);
    EXPECT_EQ(BuscarLabel(t, "b"), 1);
    EXPECT_EQ(ObtenerAddr(t, "b"), nullptr);
    EXPECT_EQ(AniadirLabel(t, "b", A(5)), 0);  // first free slot, not its old one
    EXPECT_EQ(ObtenerAddr(t, "b"), A(5));
}

TEST_F(MemfsLabels, IterationRunsByAddress) {
    AniadirLabel(t, "a", A(1));
    AniadirLabel(t, "b", A(2));
    EXPECT_EQ(ObtenerPrimeraDireccion(t), A(1));
    EXPECT_EQ(ObtenerSiguienteDireccion(t, A(1)), A(2));
    EXPECT_EQ(ObtenerSiguienteDireccion(t, A(2)), nullptr);
    EXPECT_EQ(ObtenerSiguienteDireccion(t, A(9)), nullptr);
    EXPECT_EQ(ObtenerSiguienteDireccion(t, nullptr), nullptr);
    AniadirLabel(t, "c", A(1));  // one address twice: the walk goes back and forth
    EXPECT_EQ(ObtenerSiguienteDireccion(t, A(2)), A(1));
    EXPECT_EQ(ObtenerSiguienteDireccion(t, A(1)), A(2));
}

}  // namespace
