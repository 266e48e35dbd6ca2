#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <pwd.h>
#include <string>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "core/core.h"
#include "support/session.h"

namespace {

std::string P(const char *formato) {
    const char *r = SetPrompt(formato);
    return r == nullptr ? "(rechazado)" : r;
}

// Runs the body in another working directory and comes back.
class EnDirectorio {
  public:
    explicit EnDirectorio(const std::string &d) {
        if (getcwd(antes_, sizeof antes_) == nullptr) antes_[0] = '\0';
        ok_ = chdir(d.c_str()) == 0;
    }
    ~EnDirectorio() {
        if (antes_[0] != '\0' && chdir(antes_) != 0) perror("chdir");
    }
    bool ok() const { return ok_; }

  private:
    char antes_[PATH_MAX];
    bool ok_;
};

}  // namespace

TEST(Prompt, PlainConversions) {
    EXPECT_EQ(P("a%%b%bc%td%n"), "a%b c\td\n");
    EXPECT_EQ(P("%p"), std::to_string(getpid()));
    EXPECT_EQ(P(""), "");
    struct passwd *pw = getpwuid(geteuid());
    EXPECT_EQ(P("%u"), pw ? pw->pw_name : "UnknownUser");
    struct utsname u;
    ASSERT_EQ(uname(&u), 0);
    std::string host = u.nodename;
    EXPECT_EQ(P("%m"), host.substr(0, host.find('.')));
    EXPECT_EQ(P("%o"), u.sysname);
}

TEST(Prompt, UnknownConversionsAreRefused) {
    EXPECT_EQ(P("abc%"), "(rechazado)");
    EXPECT_EQ(P("%x"), "(rechazado)");
    EXPECT_EQ(P("%b%q%b"), "(rechazado)");
    EXPECT_EQ(P(nullptr), "(rechazado)");
}

TEST(Prompt, SizesAreBounded) {
    EXPECT_EQ(P(std::string(1024, 'x').c_str()), "(rechazado)");
    EXPECT_EQ(P(std::string(1023, 'x').c_str()).size(), 1023u);
    // An expansion that outgrows the buffer is cut; a bad conversion after
    // the cut is still found.
    std::string muchos;
    for (int i = 0; i < 300; i++) muchos += "%d";
    EXPECT_EQ(P(muchos.c_str()).size(), 1023u);
    EXPECT_EQ(P((muchos + "%z").c_str()), "(rechazado)");
}

TEST(Prompt, DirectoriesAndTheirFallbacks) {
    labtest::TempDir t;
    std::string sub = t / "sub";
    ASSERT_EQ(mkdir(sub.c_str(), 0755), 0);
    ASSERT_EQ(symlink(sub.c_str(), (t / "enlace").c_str()), 0);
    char real[PATH_MAX];
    ASSERT_NE(realpath(sub.c_str(), real), nullptr);
    {
        EnDirectorio d(t / "enlace");
        ASSERT_TRUE(d.ok());
        EXPECT_EQ(P("%d"), real);  // links resolved
        EXPECT_EQ(P("%B"), "sub");
        // Once the directory is gone nothing can be read of it.
        ASSERT_EQ(rmdir(real), 0);
        EXPECT_EQ(P("%d|%B|%D"), "UnknownDir|UnknownDir|UnknownDir");
    }
    EnDirectorio raiz("/");
    EXPECT_EQ(P("%B%d"), "//");
}

TEST(Prompt, HomeContractsWithoutRequiringASlash) {
    struct passwd *pw = getpwuid(geteuid());
    if (pw == nullptr || pw->pw_dir == nullptr) GTEST_SKIP() << "no user entry";
    char home[PATH_MAX];
    if (realpath(pw->pw_dir, home) == nullptr || std::string(home) == "/") GTEST_SKIP() << "no usable home";
    {
        EnDirectorio d(home);
        ASSERT_TRUE(d.ok());
        EXPECT_EQ(P("%D"), "~");
    }
    // A sibling whose name starts with the home's name contracts too.
    std::string hermano = std::string(home) + "bel-labsh-" + std::to_string(getpid());
    if (mkdir(hermano.c_str(), 0700) != 0) GTEST_SKIP() << "cannot create " << hermano;
    {
        EnDirectorio d(hermano);
        EXPECT_EQ(P("%D"), "~bel-labsh-" + std::to_string(getpid()));
    }
    rmdir(hermano.c_str());
}
