#include <gtest/gtest.h>

#include "core/core.h"

// The indexes find what a scan of the tables from the top finds, for every
// row, and nothing for words no row holds.
TEST(TablaComandos, EveryNameAndAliasIsFoundAtTheRowAScanReaches) {
    int filas = 0;
    for (const EntradaComando *c = TablaComandos(); c->nombre != nullptr; c++, filas++) {
        const EntradaComando *primera = TablaComandos();
        while (strcmp(primera->nombre, c->nombre) != 0) primera++;
        EXPECT_EQ(BuscarComando(c->nombre), primera) << c->nombre;
    }
    EXPECT_EQ(filas, 129);
    for (const EntradaAlias *a = TablaAlias(); a->comando != nullptr; a++) {
        EXPECT_TRUE(IsInternalCommand(a->comando)) << a->comando;
        EXPECT_TRUE(IsCmdOrAlias(a->alias)) << a->alias;
    }
    for (const char *nada : {"", "a", "zzz", "pidd", "pi", "~"}) {
        EXPECT_EQ(BuscarComando(nada), nullptr) << nada;
        EXPECT_FALSE(IsCmdOrAlias(nada)) << nada;
    }
}
