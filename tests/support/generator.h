#pragma once

#include <QString>
#include <QStringList>

#include <random>

/// Values for tests that check a rule over thousands of them. All generators of a process use one
/// seed: that of the environment variable MIRAVEL_TEST_SEED, or else a new one. Each prints it, so
/// that a test function that failed can be run again, alone, with the same values.
class Generator final
{
    Q_DISABLE_COPY_MOVE(Generator)

public:
    Generator();
    ~Generator() = default;

    /// A number from \a least to \a most, both among them.
    [[nodiscard]] int between(int least, int most);

    /// The same, with small ones as likely as large ones: for sizes of any order.
    [[nodiscard]] int anyOrder(int least, int most);

    /// True once in \a times.
    [[nodiscard]] bool oneIn(int times) { return between(1, times) == 1; }

    [[nodiscard]] QString oneOf(const QStringList &values);

    /// A text of at most \a most pieces in any mixture of scripts, none of them a line end.
    [[nodiscard]] QString text(int most);

private:
    std::mt19937 m_engine;
};
