#include "KesraIo/PolyData.h"

#include <cmath>
#include <limits>

namespace KesraIo
{

std::vector<float>& Numbers::Floats(std::size_t count)
{
    m_doubles = std::vector<double>();
    m_floats.assign(count, 0.0f);
    m_isFloat = true;
    return m_floats;
}

std::vector<double>& Numbers::Doubles(std::size_t count)
{
    m_floats = std::vector<float>();
    m_doubles.assign(count, 0.0);
    m_isFloat = false;
    return m_doubles;
}

void Numbers::Append(const Numbers& other)
{
    if (Size() == 0)
    {
        *this = other;
        return;
    }
    if (m_isFloat && other.m_isFloat)
    {
        m_floats.insert(m_floats.end(), other.m_floats.begin(), other.m_floats.end());
        return;
    }
    if (m_isFloat)
    {
        const std::vector<float> mine = std::move(m_floats);
        std::vector<double>& widened = Doubles(0);
        widened.assign(mine.begin(), mine.end());
    }
    m_doubles.reserve(m_doubles.size() + other.Size());
    for (std::size_t i = 0; i < other.Size(); ++i)
    {
        m_doubles.push_back(other[i]);
    }
}

double DataArray::Value(std::size_t t, int c) const
{
    const std::size_t first = t * static_cast<std::size_t>(components);
    if (c >= 0)
    {
        return values[first + static_cast<std::size_t>(c)];
    }
    double sum = 0.0;
    for (int k = 0; k < components; ++k)
    {
        const double v = values[first + static_cast<std::size_t>(k)];
        sum += v * v;
    }
    return std::sqrt(sum);
}

Range DataArray::FiniteRange(int c) const
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    Range range{kNaN, kNaN};
    const std::size_t tuples = TupleCount();
    for (std::size_t t = 0; t < tuples; ++t)
    {
        const double v = Value(t, c);
        if (!std::isfinite(v))
        {
            continue;
        }
        if (!(v >= range.min))
        {
            range.min = v;
        }
        if (!(v <= range.max))
        {
            range.max = v;
        }
    }
    return range;
}

const DataArray* PolyData::Find(const std::string& name, Association association) const
{
    for (const DataArray& array : arrays)
    {
        if (array.name == name && array.association == association)
        {
            return &array;
        }
    }
    return nullptr;
}

} // namespace KesraIo
