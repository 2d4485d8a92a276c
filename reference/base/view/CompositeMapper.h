#pragma once

#include <vtkMapper.h>
#include <vtkSmartPointer.h>

/// A mapper that draws all blocks of a multi-block data set at once; never null.
vtkSmartPointer<vtkMapper> make_composite_mapper();
