"""Matrices of three rows and vectors of three, as tuples or lists of numbers."""
import math

IDENTITY = [[1.0, 0.0, 0.0], [0.0, 1.0, 0.0], [0.0, 0.0, 1.0]]


def diagonal(values):
    return [[values[r] if r == c else 0.0 for c in range(3)] for r in range(3)]


def rows_of(numbers):
    return [list(numbers[3 * r:3 * r + 3]) for r in range(3)]


def product(a, b):
    return [[sum(a[r][k] * b[k][c] for k in range(3)) for c in range(3)] for r in range(3)]


def apply(matrix, vector):
    return [sum(row[k] * vector[k] for k in range(3)) for row in matrix]


def scaled(matrix, factor):
    return [[factor * value for value in row] for row in matrix]


def cofactor(m, r, c):
    r1, r2, c1, c2 = (r + 1) % 3, (r + 2) % 3, (c + 1) % 3, (c + 2) % 3
    return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1]


def inverse(m):
    determinant = sum(m[0][c] * cofactor(m, 0, c) for c in range(3))
    return [[cofactor(m, c, r) / determinant for c in range(3)] for r in range(3)]


def norm(vector):
    return math.sqrt(sum(value * value for value in vector))


def largest_difference(a, b):
    """The largest distance of two elements of vectors or matrices of one shape."""
    if isinstance(a, (list, tuple)):
        return max(largest_difference(x, y) for x, y in zip(a, b))
    return abs(a - b)


def scale_error(found, true):
    """How far the lengths along the true axes are off, as a share of them."""
    residue = product(found, inverse(true))
    return max(abs(residue[i][i] - 1.0) for i in range(3))


def axis_error(found, true):
    """The largest angle in degrees between a true axis and where it is found."""
    residue = product(found, inverse(true))
    columns = [[residue[r][c] for r in range(3)] for c in range(3)]
    cosines = [columns[c][c] / norm(columns[c]) for c in range(3)]
    return max(math.degrees(math.acos(max(-1.0, min(1.0, cosine)))) for cosine in cosines)


def common_factor(found, true):
    """What `true` must be multiplied by to come nearest to `found`."""
    pairs = [(f, t) for fs, ts in zip(found, true) for f, t in zip(fs, ts)]
    return sum(f * t for f, t in pairs) / sum(t * t for _, t in pairs)
