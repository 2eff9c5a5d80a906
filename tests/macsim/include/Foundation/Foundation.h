// What the desktop's sources call of Foundation, under the system's names. Only to compile them: nothing stands behind.
#pragma once

#include <cstddef>

using BOOL = bool;
using NSInteger = long;
using NSUInteger = unsigned long;
using NSStringEncoding = NSUInteger;

constexpr NSStringEncoding NSUTF8StringEncoding = 4;

#define nil nullptr

struct NSFastEnumerationState {
    unsigned long state;
    __unsafe_unretained id* itemsPtr;
    unsigned long* mutationsPtr;
    unsigned long extra[5];
};

__attribute__((objc_root_class))
@interface NSObject
+ (instancetype)alloc;
- (instancetype)init;
@end

@interface NSString : NSObject
- (instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)length encoding:(NSStringEncoding)encoding;
@property(readonly) const char* UTF8String;
@end
using NSNotificationName = NSString*;

@interface NSArray<__covariant ObjectType> : NSObject
+ (instancetype)arrayWithObjects:(const ObjectType[])objects count:(NSUInteger)count;
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(__unsafe_unretained id*)buffer
                                    count:(NSUInteger)length;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
- (void)addObject:(ObjectType)object;
- (void)removeAllObjects;
@end

@interface NSURL : NSObject
@property(readonly) NSString* path;
@end

@interface NSBundle : NSObject
@property(class, readonly) NSBundle* mainBundle;
@property(readonly) NSString* bundlePath;
@end

@interface NSError : NSObject
@end

@interface NSOperationQueue : NSObject
@property(class, readonly) NSOperationQueue* mainQueue;
@end

@interface NSNotification : NSObject
@end

@interface NSNotificationCenter : NSObject
- (id)addObserverForName:(NSNotificationName)name
                  object:(id)object
                   queue:(NSOperationQueue*)queue
              usingBlock:(void (^)(NSNotification*))block;
- (void)removeObserver:(id)observer;
@end
